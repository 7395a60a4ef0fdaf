// How the library's exports are declared.
#pragma once

#if defined(_WIN32)
#define TESK2MP_API __declspec(dllimport)
#else
#define TESK2MP_API __attribute__((visibility("default")))
#endif
