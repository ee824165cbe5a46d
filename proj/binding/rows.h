// Makes rows from engine operations: plain<&IRTCVideo::setPlaybackVolume>("setPlaybackVolume").
#pragma once

#include <initializer_list>
#include <tuple>
#include <type_traits>
#include <utility>

#include "binding/from.h"
#include "binding/row.h"

namespace corvane {

/// The engine object that has the operation: the call's owner itself, or a sub-manager fetched from it. Logs the
/// sub-manager's line and returns null when there is none. Each class's rows come with their own entries.
template <class Owner>
Owner* find(Call& call);

namespace detail {

template <class Owner>
void* fetch(Call& call) {
  return find<Owner>(call);
}

template <class T>
using Plain = std::remove_cvref_t<T>;

// One conversion per letter: %d and %u take 'd', %s 's', %f 'f'; %lld is not used for arguments.
consteval bool conversionsMatch(const char* format, const char* letters, size_t fixed) {
  size_t seen = 0;
  for (const char* at = format; *at != '\0'; ++at) {
    if (*at != '%') continue;
    ++at;
    if (*at == '%') continue;
    while (*at == 'l') ++at;
    if (seen >= fixed) {
      const char wanted = *letters;
      if (wanted == '\0') return false;
      const char given = *at == 'u' ? 'd' : *at;
      if (given != wanted) return false;
      ++letters;
    }
    ++seen;
  }
  return seen >= fixed;
}

template <auto Operation>
struct Trampoline;

template <class Owner, class Result, class... Parameters, Result (Owner::*Operation)(Parameters...)>
struct Trampoline<Operation> {
  static constexpr size_t kCount = sizeof...(Parameters);
  static constexpr std::array<Kind, kMaxArguments> kKinds{From<Plain<Parameters>>::kKind...};
  static constexpr char kLetters[] = {From<Plain<Parameters>>::kSaid..., '\0'};
  static constexpr bool kIsWide = std::is_same_v<Result, int64_t>;

  static void run(Call& call) {
    Owner* owner = call.fetched != nullptr ? static_cast<Owner*>(call.fetched) : find<Owner>(call);
    if (owner != nullptr) convert(call, *owner, kIndices);
  }

  static void exitUnread(const Call& call) { writeExit(call, {}, kIndices); }

 private:
  using Held = std::tuple<typename From<Plain<Parameters>>::Held...>;
  static constexpr auto kIndices = std::index_sequence_for<Parameters...>();

  template <size_t... I>
  static void convert(Call& call, Owner& owner, std::index_sequence<I...>) {
    Reader reader(call.env);
    Held held;
    (From<Plain<Parameters>>::read(reader, call[I], std::get<I>(held)), ...);
    if (call.row.said != nullptr) {
      call.say(kLogInfo, call.row.said, From<Plain<Parameters>>::said(std::get<I>(held))...);
    }
    if constexpr (std::is_void_v<Result>) {
      (owner.*Operation)(From<Plain<Parameters>>::pass(std::get<I>(held))...);
      call.result = 0;
    } else {
      call.result = static_cast<int64_t>((owner.*Operation)(From<Plain<Parameters>>::pass(std::get<I>(held))...));
    }
    if (call.row.exit_has_arguments) {
      writeExit(call, held, kIndices);
      call.exit_written = true;
    }
  }

  template <size_t... I>
  static void writeExit(const Call& call, const Held& held, std::index_sequence<I...>) {
    call.say(kLogInfo, call.row.exit, static_cast<int>(call.result),
             From<Plain<Parameters>>::said(std::get<I>(held))...);
  }
};

}  // namespace detail

inline constexpr char kParamInvalid[] = "%s(%d), Param Invalid";

/// A row while its table is written: each word returns a changed copy and is checked at compile time.
/// `Letters` are the conversions that log lines may use for the arguments.
template <class Shape>
struct RowMaker {
  Row row;

  constexpr operator Row() const { return row; }  // NOLINT: tables are lists of rows

  /// The line of a refused argument, for all arguments.
  consteval RowMaker refuses(const char* format, int32_t level = kLogInfo) const {
    RowMaker made = *this;
    made.row.refusals.fill(format);
    made.row.refusal_level = level;
    return made;
  }
  /// The line of one refused argument.
  consteval RowMaker refuses(size_t argument, const char* format) const {
    RowMaker made = *this;
    made.row.refusals[argument] = format;
    return made;
  }
  consteval RowMaker enters(const char* format) const {
    RowMaker made = *this;
    made.row.entry = format;
    return made;
  }
  consteval RowMaker exits(const char* format) const {
    RowMaker made = *this;
    made.row.exit = format;
    return made;
  }
  /// An exit line for a 64-bit result.
  consteval RowMaker exitsWide(const char* format) const {
    RowMaker made = *this;
    made.row.exit = format;
    made.row.exit_is_wide = true;
    return made;
  }
  /// An exit line that goes on with the leading arguments.
  consteval RowMaker exitsWithArguments(const char* format) const {
    if (!detail::conversionsMatch(format, Shape::kLetters, 3)) throw "the exit line does not fit the arguments";
    RowMaker made = *this;
    made.row.exit = format;
    made.row.exit_has_arguments = true;
    made.row.exit_unread = &Shape::exitUnread;
    return made;
  }
  /// A line with the leading arguments, before the engine call.
  consteval RowMaker says(const char* format) const {
    if (!detail::conversionsMatch(format, Shape::kLetters, 2)) throw "the line does not fit the arguments";
    RowMaker made = *this;
    made.row.said = format;
    return made;
  }
  /// The sub-manager `Owner` is fetched before the arguments are tested.
  template <class Owner>
  consteval RowMaker fetchesFirst() const {
    RowMaker made = *this;
    made.row.fetch = &detail::fetch<Owner>;
    return made;
  }
  /// An argument that is converted without a test.
  consteval RowMaker leavesUntested(size_t argument) const {
    RowMaker made = *this;
    made.row.kinds[argument] = Kind::kAny;
    return made;
  }
  /// What a call without a result answers.
  consteval RowMaker answers(Answer answer) const {
    RowMaker made = *this;
    made.row.answer = answer;
    return made;
  }
  /// A second line, behind the class's own, when the owner is missing.
  consteval RowMaker missesOwnerWith(const char* format) const {
    RowMaker made = *this;
    made.row.owner_missing = format;
    return made;
  }
  /// Arguments are tested before the owner.
  consteval RowMaker testsArgumentsFirst() const {
    RowMaker made = *this;
    made.row.arguments_first = true;
    return made;
  }
};

/// A plain method: argument kinds and conversions follow from the operation's parameters.
template <auto Operation>
consteval RowMaker<detail::Trampoline<Operation>> plain(const char* name, int32_t line = __builtin_LINE()) {
  using Shape = detail::Trampoline<Operation>;
  RowMaker<Shape> made;
  made.row.name = name;
  made.row.run = &Shape::run;
  made.row.line = line;
  made.row.kinds = Shape::kKinds;
  made.row.argument_count = static_cast<uint8_t>(Shape::kCount);
  made.row.refusals.fill(kParamInvalid);
  if (Shape::kIsWide) {
    made.row.exit = "-%s(%d), ret: %lld";
    made.row.exit_is_wide = true;
  }
  return made;
}

struct SpecialShape {
  static constexpr char kLetters[] = "";
};

/// A method whose conversion and engine call are a function of its own; tests and lines are the row's.
consteval RowMaker<SpecialShape> special(const char* name, Row::Run run, std::initializer_list<Kind> kinds = {},
                                         int32_t line = __builtin_LINE()) {
  RowMaker<SpecialShape> made;
  made.row.name = name;
  made.row.run = run;
  made.row.line = line;
  for (const Kind kind : kinds) made.row.kinds[made.row.argument_count++] = kind;
  made.row.refusals.fill(kParamInvalid);
  return made;
}

/// A method that tests, logs and answers by itself.
consteval RowMaker<SpecialShape> bare(const char* name, Row::Run run, int32_t line = __builtin_LINE()) {
  RowMaker<SpecialShape> made;
  made.row.name = name;
  made.row.run = run;
  made.row.line = line;
  made.row.bare = true;
  return made;
}

}  // namespace corvane
