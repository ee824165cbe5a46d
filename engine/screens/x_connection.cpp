#include "screens/x_connection.h"

#include <sys/socket.h>
#include <xcb/composite.h>
#include <xcb/damage.h>
#include <xcb/randr.h>
#include <xcb/res.h>
#include <xcb/shm.h>
#include <xcb/xfixes.h>

#include <string_view>
#include <utility>

namespace corvane::rtc {

namespace {

constexpr std::string_view kAtomNames[] = {
    "_NET_CLIENT_LIST",
    "_NET_WM_NAME",
    "_NET_WM_WINDOW_TYPE",
    "_NET_WM_WINDOW_TYPE_DESKTOP",
    "_NET_WM_WINDOW_TYPE_DOCK",
    "_NET_WM_PID",
    "_NET_WM_ICON",
    "WM_STATE",
    "UTF8_STRING",
};
static_assert(std::size(kAtomNames) == static_cast<size_t>(XAtom::kCount));

struct Extension {
  XExtension name;
  xcb_extension_t& id;
  // Asks for a version, which some servers want before anything else, and tells whether what they have is enough.
  bool (*is_recent)(const XConnection& x);
};

// Answers of the form {major_version, minor_version}.
template <auto kAsk, auto kReply, uint32_t kMajor, uint32_t kMinor>
bool versionIsEnough(const XConnection& x) {
  const auto version = x.answer<kReply>(kAsk(x.get(), kMajor, kMinor));
  return version != nullptr &&
         (version->major_version > kMajor || (version->major_version == kMajor && version->minor_version >= kMinor));
}

bool resourcesAreEnough(const XConnection& x) {
  const auto version = x.answer<&xcb_res_query_version_reply>(xcb_res_query_version(x.get(), 1, 2));
  return version != nullptr && version->server_major == 1 && version->server_minor >= 2;
}

bool sharedMemoryIsEnough(const XConnection& x) {
  const auto version = x.answer<&xcb_shm_query_version_reply>(xcb_shm_query_version(x.get()));
  return version != nullptr && version->major_version == 1 && version->minor_version >= 2;
}

const Extension kExtensions[] = {
    {XExtension::kComposite, xcb_composite_id,
     &versionIsEnough<&xcb_composite_query_version, &xcb_composite_query_version_reply, 0, 4>},
    {XExtension::kDamage, xcb_damage_id,
     &versionIsEnough<&xcb_damage_query_version, &xcb_damage_query_version_reply, 1, 1>},
    {XExtension::kFixes, xcb_xfixes_id,
     &versionIsEnough<&xcb_xfixes_query_version, &xcb_xfixes_query_version_reply, 2, 0>},
    {XExtension::kRandr, xcb_randr_id,
     &versionIsEnough<&xcb_randr_query_version, &xcb_randr_query_version_reply, 1, 5>},
    {XExtension::kResources, xcb_res_id, &resourcesAreEnough},
    {XExtension::kSharedMemory, xcb_shm_id, &sharedMemoryIsEnough},
};

xcb_screen_t* findScreen(xcb_connection_t* connection, int number) {
  xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
  for (; number > 0 && screens.rem > 0; --number) xcb_screen_next(&screens);
  return screens.rem > 0 ? screens.data : nullptr;
}

// Pixels are taken as they lie in memory: 0xRRGGBB in 32 bits, as every desktop of the last twenty years has them.
bool hasKnownPixels(const xcb_setup_t& setup, const xcb_screen_t& screen) {
  if (setup.image_byte_order != XCB_IMAGE_ORDER_LSB_FIRST) return false;
  for (auto depth = xcb_screen_allowed_depths_iterator(&screen); depth.rem > 0; xcb_depth_next(&depth)) {
    for (auto visual = xcb_depth_visuals_iterator(depth.data); visual.rem > 0; xcb_visualtype_next(&visual)) {
      if (visual.data->visual_id != screen.root_visual) continue;
      return depth.data->depth >= 24 && visual.data->red_mask == 0xff0000 && visual.data->green_mask == 0xff00 &&
             visual.data->blue_mask == 0xff;
    }
  }
  return false;
}

CaptureFault noServer(std::string text) {
  return {kNotFound, kMediaDeviceErrorNotFound, std::move(text)};
}

CaptureFault notReadable(std::string text) {
  return {kNotSupported, kMediaDeviceErrorNoPermission, std::move(text)};
}

}  // namespace

std::unique_ptr<XConnection> XConnection::open(const std::string& display, CaptureFault& fault) {
  if (display.empty()) {
    const bool is_wayland = getenv("WAYLAND_DISPLAY") != nullptr;
    fault = is_wayland ? notReadable("the desktop is a Wayland one, which lets nobody read its screen")
                       : noServer("no X server is named in DISPLAY");
    return nullptr;
  }
  int screen_number = 0;
  xcb_connection_t* connection = xcb_connect(display.c_str(), &screen_number);
  xcb_screen_t* screen = xcb_connection_has_error(connection) == 0 ? findScreen(connection, screen_number) : nullptr;
  if (screen == nullptr) {
    xcb_disconnect(connection);
    fault = noServer("there is no X server " + display);
    return nullptr;
  }
  std::unique_ptr<XConnection> x(new XConnection(connection, screen));
  if (x->isPartOfWayland()) {
    fault = notReadable("the X server " + display + " is a Wayland desktop's, which lets nobody read its screen");
  } else if (!hasKnownPixels(*xcb_get_setup(connection), *screen)) {
    fault = notReadable("the X server " + display + " has no pixels of 24 bits");
  } else {
    return x;
  }
  return nullptr;
}

XConnection::XConnection(xcb_connection_t* connection, xcb_screen_t* screen)
    : connection_(connection), screen_(screen) {
  findAtoms();
  findExtensions();
}

void XConnection::findAtoms() {
  std::array<xcb_intern_atom_cookie_t, static_cast<size_t>(XAtom::kCount)> asked;
  for (size_t index = 0; index < asked.size(); ++index) {
    const std::string_view name = kAtomNames[index];
    asked[index] = xcb_intern_atom(connection_, 0, static_cast<uint16_t>(name.size()), name.data());
  }
  for (size_t index = 0; index < asked.size(); ++index) {
    const auto atom = answer<&xcb_intern_atom_reply>(asked[index]);
    if (atom != nullptr) atoms_[index] = atom->atom;
  }
}

void XConnection::findExtensions() {
  for (const Extension& extension : kExtensions) xcb_prefetch_extension_data(connection_, &extension.id);
  for (const Extension& extension : kExtensions) {
    const xcb_query_extension_reply_t* found = xcb_get_extension_data(connection_, &extension.id);
    extensions_[static_cast<size_t>(extension.name)] =
        found != nullptr && found->present != 0 && extension.is_recent(*this);
  }
}

// Newer ones name themselves by an extension, older ones by their outputs.
bool XConnection::isPartOfWayland() const {
  constexpr std::string_view kName = "XWAYLAND";
  const auto extension = answer<&xcb_query_extension_reply>(
      xcb_query_extension(connection_, static_cast<uint16_t>(kName.size()), kName.data()));
  if (extension != nullptr && extension->present != 0) return true;
  if (!has(XExtension::kRandr)) return false;

  const auto resources = answer<&xcb_randr_get_screen_resources_current_reply>(
      xcb_randr_get_screen_resources_current(connection_, root()));
  if (resources == nullptr || resources->num_outputs == 0) return false;
  const xcb_randr_output_t first = xcb_randr_get_screen_resources_current_outputs(resources.get())[0];
  const auto output = answer<&xcb_randr_get_output_info_reply>(
      xcb_randr_get_output_info(connection_, first, resources->config_timestamp));
  if (output == nullptr) return false;
  const auto* name = reinterpret_cast<const char*>(xcb_randr_get_output_info_name(output.get()));
  return std::string_view(name, output->name_len).starts_with(kName);
}

void XConnection::abort() const {
  shutdown(xcb_get_file_descriptor(connection_), SHUT_RDWR);
}

uint8_t XConnection::firstEvent(xcb_extension_t& extension) const {
  return xcb_get_extension_data(connection_, &extension)->first_event;
}

XReply<xcb_get_property_reply_t> XConnection::property(xcb_window_t window, xcb_atom_t name, uint32_t max_bytes) const {
  auto reply = answer<&xcb_get_property_reply>(
      xcb_get_property(connection_, 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, max_bytes / 4));
  if (reply != nullptr && reply->type == XCB_NONE) reply.reset();
  return reply;
}

std::string environmentDisplay() {
  const char* display = getenv("DISPLAY");
  return display != nullptr ? display : "";
}

}  // namespace corvane::rtc
