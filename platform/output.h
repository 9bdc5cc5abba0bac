#pragma once

// The one writer of standard output. Nothing reaches an interface before FlushOutput, which every reply ends
// with; a write that fails (the reader has gone) is not an error here: the end of input follows it.

#if defined(__GNUC__)
#define KESTROVAN_PRINTF_LIKE __attribute__((format(printf, 1, 2)))
#else
#define KESTROVAN_PRINTF_LIKE
#endif

// Writes formatted text, as printf does, into the output buffer.
void Print(const char* format, ...) KESTROVAN_PRINTF_LIKE;

// Hands everything printed so far to the reader of standard output.
void FlushOutput();
