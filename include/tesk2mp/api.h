// How the library's exports are declared. The library's sources include these declarations, so that the compiler
// compares each definition with its declaration; they are compiled with TESK2MP_BUILD.
#pragma once

#if !defined(_WIN32)
#define TESK2MP_API __attribute__((visibility("default")))
#elif defined(TESK2MP_BUILD)
#define TESK2MP_API
#else
#define TESK2MP_API __declspec(dllimport)
#endif
