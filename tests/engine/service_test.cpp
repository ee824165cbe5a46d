// Services that do what no service should: rooms on them fail with a word, or come to be all the same, and others go
// on.
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>

#include "corvane_rtc/rtc_room_events.h"
#include "support/engine_test.h"
#include "support/fake_service.h"

namespace corvane::test {
namespace {

constexpr std::chrono::seconds kPatience(20);

// One room, and what it told.
class SeenRoom final : public rtc::IRTCRoomEventHandler {
 public:
  SeenRoom(rtc::IRTCVideo* engine, const std::string& id) : room_(engine->createRTCRoom(id.c_str())) {
    room_->setRTCRoomEventHandler(this);
    rtc::RTCRoomConfig config = {};
    config.is_auto_subscribe_video = true;
    room_->joinRoom("", {"ann", ""}, config);
  }
  ~SeenRoom() {
    room_->setRTCRoomEventHandler(nullptr);
    room_->destroy();
  }
  SeenRoom(const SeenRoom&) = delete;
  SeenRoom& operator=(const SeenRoom&) = delete;

  void onRoomStateChanged(const char*, const char*, int32_t state, const char* extra_info) override {
    note(state, extra_info);
  }
  void onStreamSubscribed(int32_t state, const char* user, const rtc::SubscribeConfig&) override {
    const std::lock_guard lock(mutex_);
    subscribed_[user] = state;
    changed_.notify_all();
  }

  /// The first state that was told, and what was said to it.
  std::pair<int32_t, std::string> firstState() {
    std::unique_lock lock(mutex_);
    if (!changed_.wait_for(lock, kPatience, [this] { return told_; })) return {1, "nothing was told"};
    return {state_, extra_info_};
  }
  /// What became of the subscription to a user; -1 when that was not told.
  int32_t subscription(const std::string& user) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, kPatience, [&] { return subscribed_.contains(user); });
    return subscribed_.contains(user) ? subscribed_[user] : -1;
  }

 private:
  void note(int32_t state, const char* extra_info) {
    const std::lock_guard lock(mutex_);
    if (std::exchange(told_, true)) return;
    state_ = state;
    extra_info_ = extra_info;
    changed_.notify_all();
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  bool told_ = false;
  int32_t state_ = 0;
  std::string extra_info_;
  std::map<std::string, int32_t> subscribed_;
  rtc::IRTCRoom* room_;
};

class ServiceTest : public EngineTest {
 protected:
  void SetUp() override {}

  // Which of the services in a list the room of an id is on, as every engine finds.
  static size_t placeOf(const std::string& id, size_t count) {
    uint64_t hash = 14695981039346656037ULL;
    for (const char character : id) {
      hash ^= static_cast<unsigned char>(character);
      hash *= 1099511628211ULL;
    }
    return hash % count;
  }
  static std::string roomAt(size_t place, size_t count) {
    for (int number = 0;; ++number) {
      if (std::string id = "room " + std::to_string(number); placeOf(id, count) == place) return id;
    }
  }
  void createWith(const std::vector<std::string>& services) {
    std::string list;
    for (const std::string& service : services) list += (list.empty() ? "" : ",") + service;
    create((R"({"service":[)" + list + "]}").c_str());
  }
  static std::string quoted(const std::string& text) { return '"' + text + '"'; }
};

// Takes connections, and says nothing.
class DeafPort {
 public:
  DeafPort() {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof(address);
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    if (bind(socket_, generic, size) == 0 && listen(socket_, 4) == 0) getsockname(socket_, generic, &size);
    port_ = ntohs(address.sin_port);
  }
  ~DeafPort() { close(socket_); }
  DeafPort(const DeafPort&) = delete;
  DeafPort& operator=(const DeafPort&) = delete;
  std::string url() const { return "ws://127.0.0.1:" + std::to_string(port_); }

 private:
  const int socket_ = socket(AF_INET, SOCK_STREAM, 0);
  uint16_t port_ = 0;
};

// Takes the five seconds that a service has for an answer, once for all.
TEST_F(ServiceTest, FailsWithAWordAndHarmsNoOtherRoom) {
  const DeafPort deaf;
  const FakeService silent([](int, const std::string&) { return ServiceAnswer(); });
  WillingService forgetful_service;
  const FakeService forgetful([&](int, const std::string& text) {
    const bool joins = text.find("\"join\"") != std::string::npos;
    return ServiceAnswer{joins ? std::vector<std::string>() : forgetful_service.answer(text)};
  });
  WillingService refusing_service;
  const FakeService refusing([&](int, const std::string& text) {
    ServiceAnswer answer{refusing_service.answer(text)};
    const bool joins = text.find("\"request\":\"join\"") != std::string::npos;
    for (std::string& reply : answer.texts) {
      const size_t at = reply.find("\"videoroom\":\"joined\"");
      if (joins && at != std::string::npos) reply.replace(at, 20, R"("error_code":426,"error":"No such room")");
    }
    return answer;
  });
  WillingService willing_service;
  const FakeService willing([&](int, const std::string& text) { return ServiceAnswer{willing_service.answer(text)}; });

  struct Case {
    std::string service;
    int32_t state;
    const char* word;
  };
  const std::array<Case, 7> cases = {{
      {quoted(willing.url()), rtc::kRoomStateJoined, "elapsed"},
      {quoted(deaf.url()), rtc::kRoomStateJoinFailed, "does not answer"},
      {quoted(silent.url()), rtc::kRoomStateJoinFailed, "does not answer"},
      {quoted(forgetful.url()), rtc::kRoomStateJoinFailed, "does not answer"},
      {quoted(refusing.url()), rtc::kRoomStateJoinFailed, "neither has the room nor creates it"},
      {quoted("http://host"), rtc::kRoomStateJoinFailed, "is not an address"},
      {"{}", rtc::kRoomStateJoinFailed, "is not an address"},
  }};
  std::vector<std::string> services;
  for (const Case& each : cases) services.push_back(each.service);
  createWith(services);
  std::vector<std::unique_ptr<SeenRoom>> rooms;
  for (size_t place = 0; place < cases.size(); ++place) {
    rooms.push_back(std::make_unique<SeenRoom>(engine, roomAt(place, cases.size())));
  }
  for (size_t place = 0; place < cases.size(); ++place) {
    const auto [state, extra_info] = rooms[place]->firstState();
    EXPECT_EQ(state, cases[place].state) << cases[place].service;
    EXPECT_NE(extra_info.find(cases[place].word), std::string::npos) << extra_info;
  }
}

TEST_F(ServiceTest, BearsNoiseAndSuddenEnds) {
  WillingService service;
  std::mutex mutex;
  std::vector<int> asked;  // connections, by their texts
  const FakeService fake([&](int connection, const std::string& text) {
    const std::lock_guard lock(mutex);
    asked.push_back(connection);
    ServiceAnswer answer{service.answer(text)};
    switch (connection) {
      case 1:  // ends while the room's handle is being attached
        if (text.find("attach") != std::string::npos) answer = {{}, true};
        break;
      case 2:  // ends while the room is being joined
        if (text.find("\"join\"") != std::string::npos) answer = {{}, true};
        break;
      case 3:  // more than any answer has
        if (text.find("attach") != std::string::npos) answer = {{std::string(5 << 20, ' ')}};
        break;
      case 4: {  // noise round everything, and everything twice
        const std::vector<std::string> once = answer.texts;
        const char* noise[] = {"",
                               "\xff\xfe",
                               "{",
                               "null",
                               "[[]]",
                               "7",
                               R"({"janus":7})",
                               R"({"janus":"success"})",
                               R"({"janus":"event","sender":1,"plugindata":7})",
                               R"({"janus":"success","transaction":"999","data":{"id":3}})"};
        answer.texts.assign(std::begin(noise), std::end(noise));
        answer.texts.push_back(std::string(200'000, '['));
        answer.texts.insert(answer.texts.end(), once.begin(), once.end());
        answer.texts.insert(answer.texts.end(), once.begin(), once.end());
        break;
      }
      default:
        break;
    }
    return answer;
  });
  createWith({quoted(fake.url())});
  SeenRoom room(engine, "room");
  EXPECT_EQ(room.firstState().first, rtc::kRoomStateJoined) << room.firstState().second;
  const std::lock_guard lock(mutex);
  EXPECT_EQ(asked.back(), 4);
}

// A service with one room, whose answers to what ends and opens it a test lays down. It notes what it is asked.
class EndingRoom {
 public:
  /// Answers by request, each used once but the last: of "join" the description, else the plug-in's data.
  explicit EndingRoom(std::map<std::string, std::vector<std::string>> answers) : answers_(std::move(answers)) {}

  std::string url() const { return service_.url(); }
  /// Waits until a request of this kind has come.
  std::vector<std::string> askedUntil(const std::string& last) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, kPatience, [&] { return !asked_.empty() && asked_.back() == last; });
    return asked_;
  }

 private:
  ServiceAnswer answer(const std::string& text) {
    const std::string request = valueOf(text, "request");
    ServiceAnswer made{willing_.answer(text)};
    const bool makes_messages = request == "create" && text.find("\"publishers\"") == std::string::npos;
    if (request.empty() || request == "setup" || makes_messages) return made;
    const std::lock_guard lock(mutex_);
    if (request != "configure") asked_.push_back(request);
    std::string data = R"({"videoroom":"event"})";
    if (auto& left = answers_[request]; !left.empty()) {
      data = left.front();
      if (left.size() > 1) left.erase(left.begin());
    }
    made.texts = {R"({"janus":"event","transaction":")" + valueOf(text, "transaction") + R"(","plugindata":{"data":)" +
                  data + "}}"};
    changed_.notify_all();
    return made;
  }
  static std::string valueOf(const std::string& text, const std::string& key) {
    const size_t at = text.find('"' + key + "\":\"");
    if (at == std::string::npos) return {};
    const size_t start = at + key.size() + 4;
    return text.substr(start, text.find('"', start) - start);
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::map<std::string, std::vector<std::string>> answers_;
  std::vector<std::string> asked_;
  WillingService willing_;
  const FakeService service_{[this](int, const std::string& text) { return answer(text); }};
};

constexpr char kNoRoom[] = R"({"error_code":426,"error":"No such room"})";
constexpr char kNobody[] = R"({"participants":[]})";
constexpr char kSomebody[] = R"({"participants":[{"id":"bob"}]})";
constexpr char kSecret[] = "0123456789abcdef0123456789abcdef0123456789abcdef";

std::string joinedAs(const std::string& description) {
  return R"({"videoroom":"joined","publishers":[],"description":")" + description + "\"}";
}

TEST_F(ServiceTest, OpensAClosingRoomOrMakesAnother) {
  const std::string open = std::string("corvane:") + kSecret;
  const std::string closing = open + ":closing:" + kSecret;
  using Asked = std::vector<std::string>;
  EndingRoom in_time({{"join", {joinedAs(closing)}}});
  EndingRoom too_late({{"join", {joinedAs(closing), kNoRoom, joinedAs(open)}}, {"edit", {kNoRoom}}});
  EndingRoom opened_by_another({{"join", {joinedAs(closing)}}, {"edit", {R"({"error_code":433,"error":"secret"})"}}});
  EndingRoom never({{"join", {joinedAs(closing)}}, {"edit", {kNoRoom}}});
  EndingRoom foreign({{"join", {joinedAs("an administrator's")}}});
  EndingRoom* services[] = {&in_time, &too_late, &opened_by_another, &never, &foreign};
  const Asked asked[] = {{"join", "edit"}, {"join", "edit", "join", "create", "join"}, {"join", "edit"}, {}, {"join"}};
  std::vector<std::string> urls;
  for (const EndingRoom* service : services) urls.push_back(quoted(service->url()));
  createWith(urls);
  for (size_t place = 0; place < std::size(services); ++place) {
    SeenRoom room(engine, roomAt(place, std::size(services)));
    const auto [state, extra_info] = room.firstState();
    const bool joins = services[place] != &never;
    EXPECT_EQ(state, joins ? rtc::kRoomStateJoined : rtc::kRoomStateJoinFailed) << place;
    if (joins) {
      EXPECT_EQ(services[place]->askedUntil(asked[place].back()), asked[place]) << place;
    } else {
      EXPECT_NE(extra_info.find("neither has the room nor"), std::string::npos) << extra_info;
    }
  }
}

TEST_F(ServiceTest, EndsARoomOnlyWhenNobodyIsInIt) {
  const std::string open = joinedAs(std::string("corvane:") + kSecret);
  const std::string refused = R"({"error_code":433,"error":"secret"})";
  struct Case {
    std::map<std::string, std::vector<std::string>> answers;
    std::vector<std::string> asked;
  };
  const Case cases[] = {
      {{{"listparticipants", {kNobody}}}, {"listparticipants", "edit", "listparticipants", "destroy", "destroy"}},
      {{{"listparticipants", {kSomebody}}}, {"listparticipants"}},
      {{{"listparticipants", {kNobody, kSomebody}}}, {"listparticipants", "edit", "listparticipants", "edit"}},
      {{{"listparticipants", {kNobody}}, {"edit", {refused}}}, {"listparticipants", "edit"}},
      {{{"listparticipants", {kNobody}}, {"destroy", {refused}}},
       {"listparticipants", "edit", "listparticipants", "destroy"}},
  };
  for (const Case& each : cases) {
    auto answers = each.answers;
    answers["join"] = {open};
    EndingRoom service(answers);
    createWith({quoted(service.url())});
    {
      SeenRoom room(engine, "room");
      EXPECT_EQ(room.firstState().first, rtc::kRoomStateJoined);
    }
    TearDown();  // the engine waits for what is under way
    std::vector<std::string> asked = {"join", "leave"};
    asked.insert(asked.end(), each.asked.begin(), each.asked.end());
    EXPECT_EQ(service.askedUntil(asked.back()), asked);
  }
}

TEST_F(ServiceTest, RefusesOffersThatMakeNoSense) {
  constexpr char kHead[] = "v=0\r\no=- 1 1 IN IP4 127.0.0.1\r\ns=-\r\nt=0 0\r\n";
  constexpr char kVideo[] = "m=video 9 UDP/TLS/RTP/SAVPF 96\r\nc=IN IP4 127.0.0.1\r\na=mid:0\r\na=sendonly\r\n";
  const std::string whole = std::string(kHead) + "a=group:BUNDLE 0\r\n" + kVideo +
                            "a=rtpmap:96 VP8/90000\r\na=setup:actpass\r\na=rtcp-mux\r\na=ice-ufrag:abcd\r\n"
                            "a=ice-pwd:0123456789012345678901\r\n";
  const std::map<std::string, std::string> offers = {
      {"noise", "\x01\x02 no description"},
      {"zero", std::string("\0v=0", 4)},
      {"head", kHead},
      {"bare", std::string(kHead) + kVideo},
      {"no fingerprint", whole},
      {"wrong fingerprint", whole + "a=fingerprint:sha-256 no:hex\r\n"},
      {"wrong numbers", whole + "a=ssrc:-1 cname:x\r\na=rtcp-fb:999999999999 nack\r\na=extmap:70000 x\r\n"},
      {"no codec", std::string(kHead) + "m=video 9 UDP/TLS/RTP/SAVPF\r\na=mid:0\r\n"},
      {"long", std::string(kHead) + "a=" + std::string(1 << 20, 'x') + "\r\n"},
  };
  std::vector<std::string> members;
  for (const auto& [member, offer] : offers) members.push_back(member);
  WillingService service(members);
  service.offer = [&](const std::string& member) { return offers.at(member); };
  const FakeService fake([&](int, const std::string& text) { return ServiceAnswer{service.answer(text)}; });
  createWith({quoted(fake.url())});
  SeenRoom room(engine, "room");
  EXPECT_EQ(room.firstState().first, rtc::kRoomStateJoined);
  // Those that nothing can come of; the others are given up when no connection has come about for a while.
  for (const char* member : {"noise", "zero", "head", "long"}) {
    EXPECT_EQ(room.subscription(member), rtc::kSubscribeStateFailed) << member;
  }
}

bool asksFor(const std::string& text, const char* request) {
  return text.find(R"("request":")" + std::string(request) + '"') != std::string::npos;
}

// A server works on what two handles ask for in any order.
TEST_F(ServiceTest, JoinsARoomAgainOnceItHasLeft) {
  WillingService service;
  int joined = 0;
  std::vector<std::string> withheld;
  const FakeService fake([&](int, const std::string& text) {
    ServiceAnswer answer{service.answer(text)};
    if (asksFor(text, "leave")) --joined;
    if (asksFor(text, "join") && ++joined == 2) {
      const size_t at = answer.texts[0].find(R"("videoroom":"joined")");
      answer.texts[0].replace(at, 20, R"("error_code":436,"error":"You are here already")");
    }
    // What the first session says its last with is answered after the second has been attached.
    if (joined == 1 && asksFor(text, "configure")) std::swap(withheld, answer.texts);
    if (joined == 1 && text.find("videoroom") != std::string::npos && !withheld.empty()) {
      answer.texts.insert(answer.texts.end(), withheld.begin(), withheld.end());
    }
    return answer;
  });
  createWith({quoted(fake.url())});
  std::optional<SeenRoom> room(std::in_place, engine, "room");
  EXPECT_EQ(room->firstState().first, rtc::kRoomStateJoined);
  room.reset();
  room.emplace(engine, "room");
  EXPECT_EQ(room->firstState().first, rtc::kRoomStateJoined) << room->firstState().second;
}

TEST_F(ServiceTest, EndsWhileOneServiceIsSilentAndAnotherGoes) {
  std::array<WillingService, 2> services;
  std::atomic<size_t> going = 0;
  const auto script = [&](size_t index) {
    return [&, index](int, const std::string& text) {
      if (asksFor(text, "configure")) return ServiceAnswer{{}, index == going};
      return ServiceAnswer{services[index].answer(text)};
    };
  };
  const FakeService first(script(0));
  const FakeService second(script(1));
  going = first.url() < second.url() ? 1 : 0;  // the one that is ended last
  createWith({quoted(first.url()), quoted(second.url())});
  SeenRoom one(engine, roomAt(0, 2));
  SeenRoom other(engine, roomAt(1, 2));
  EXPECT_EQ(one.firstState().first, rtc::kRoomStateJoined);
  EXPECT_EQ(other.firstState().first, rtc::kRoomStateJoined);
  rtc::destroyRTCVideo();
}

}  // namespace
}  // namespace corvane::test
