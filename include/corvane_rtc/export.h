// Linkage of the engine library's C entry points.
#pragma once

#if defined(_WIN32)
#if defined(CORVANE_RTC_BUILD)
#define CORVANE_RTC_API __declspec(dllexport)
#else
#define CORVANE_RTC_API __declspec(dllimport)
#endif
#else
#define CORVANE_RTC_API __attribute__((visibility("default")))
#endif
