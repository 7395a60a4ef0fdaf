// The console: where every message of the library goes.
#pragma once

#if defined(_WIN32) && defined(QUARNC_BUILD)
#define QUARNC_API __declspec(dllexport)
#elif defined(_WIN32)
#define QUARNC_API __declspec(dllimport)
#else
#define QUARNC_API __attribute__((visibility("default")))
#endif

/// Receives console text as it comes, piece by piece.
using QuarnConsoleSink = void (*)(const char* text, void* context);

extern "C" {

/// printf to the console: standard output, through the same stream as putchar, so that the order of text is kept.
/// Returns the number of characters written.
QUARNC_API int OldQuarnPrintf(const char* format, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 1, 2)))
#endif
    ;

/// Sends console text to the sink from now on; a null sink means standard output again.
QUARNC_API void QuarnRedirectConsole(QuarnConsoleSink sink, void* context);
}
