#include "service/janus_farewell.h"

#include <utility>

#include "service/janus_connection.h"
#include "service/room_mark.h"

namespace corvane::rtc {

namespace {

bool isEmptyRoom(const Json& answer) {
  const Json& members = memberOf(answer, "participants");
  return members.is_array() && members.empty();
}

}  // namespace

JanusFarewell::JanusFarewell(JanusConnection& connection, std::unique_ptr<JanusHandle> handle, Leaving leaving)
    : connection_(connection), leaving_(std::move(leaving)), handle_(std::move(handle)) {
  handle_->setListener(*this);
}

void JanusFarewell::begin() {
  if (leaving_.last_state.empty()) return leave({});
  ask({{"request", "configure"}, {"display", leaving_.last_state}}, &JanusFarewell::leave);
}

void JanusFarewell::ask(Json body, Step next) {
  handle_->send(std::move(body), [this, next](const Json& answer, const std::string&) { (this->*next)(answer); });
}

void JanusFarewell::setMark(const std::string& from, const std::string& to, Step next) {
  ask({{"request", "edit"}, {"room", leaving_.room_id}, {"secret", from}, {"new_secret", to}, {"new_description", to}},
      next);
}

void JanusFarewell::leave(const Json& /*answer*/) {
  ask({{"request", "leave"}}, &JanusFarewell::look);
}

void JanusFarewell::look(const Json& answer) {
  left_ = true;
  connection_.onMemberLeft();
  if (leaving_.mark->empty()) return finish(answer);
  ask({{"request", "listparticipants"}, {"room", leaving_.room_id}}, &JanusFarewell::close);
}

void JanusFarewell::close(const Json& members) {
  if (!isEmptyRoom(members)) return finish(members);
  closing_ = closingMark(*leaving_.mark);
  setMark(*leaving_.mark, closing_, &JanusFarewell::lookAgain);
}

void JanusFarewell::lookAgain(const Json& answer) {
  if (errorCodeOf(answer) != 0) return finish(answer);  // another one is at it
  ask({{"request", "listparticipants"}, {"room", leaving_.room_id}}, &JanusFarewell::endRoom);
}

void JanusFarewell::endRoom(const Json& members) {
  if (!isEmptyRoom(members)) return setMark(closing_, *leaving_.mark, &JanusFarewell::finish);
  ask({{"request", "destroy"}, {"room", leaving_.room_id}, {"secret", closing_}}, &JanusFarewell::endMessages);
}

void JanusFarewell::endMessages(const Json& answer) {
  if (errorCodeOf(answer) != 0) return finish(answer);  // someone has come
  connection_.context().log.info("room %s: ended on the service with its last member", leaving_.room_id.c_str());
  messages_ = std::make_unique<JanusHandle>(connection_, "janus.plugin.textroom", *this);
  const std::string room = messageRoomOf(leaving_.room_id, *leaving_.mark);
  messages_->send({{"request", "destroy"}, {"room", room}, {"secret", *leaving_.mark}},
                  [this](const Json& told, const std::string&) { finish(told); });
}

void JanusFarewell::finish(const Json& /*answer*/) {
  connection_.dismiss(*this);
}

void JanusFarewell::onHandleEnded(const std::string& /*reason*/) {
  connection_.dismiss(*this);
}

}  // namespace corvane::rtc
