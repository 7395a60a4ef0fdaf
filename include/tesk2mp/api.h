// How the library's exports are declared. The library's sources include these declarations, so that the compiler
// compares each definition with its declaration; they are compiled with TESK2MP_BUILD.
#pragma once

#include "quarn/quarnfloat.h"

#if !defined(_WIN32)
#define TESK2MP_API __attribute__((visibility("default")))
#elif defined(TESK2MP_BUILD)
#define TESK2MP_API
#else
#define TESK2MP_API __declspec(dllimport)
#endif

// Around declarations that use Complex and Integer. Exports have C linkage, so that a namespace does not change their
// names for the linker; this one is seen from everywhere. By default the declarations are at global scope.
#if defined(QUARN_NO_GLOBAL_NAMES)
namespace quarn::exports {}
using namespace quarn::exports;
#define TESK2MP_NAMES_BEGIN namespace quarn::exports {
#define TESK2MP_NAMES_END }
#else
#define TESK2MP_NAMES_BEGIN
#define TESK2MP_NAMES_END
#endif
