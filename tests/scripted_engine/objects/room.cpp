#include "objects/room.h"

#include "objects/rooms.h"

namespace corvane::scripted {

void Room::destroy() {
  note("destroy");
  Attachments::instance().detachOwned(this);
  for (ScriptedObject* part : std::initializer_list<ScriptedObject*>{this, &range_audio_, &spatial_audio_}) {
    part->end();
  }
  Rooms::instance().forget(*this);
}

}  // namespace corvane::scripted
