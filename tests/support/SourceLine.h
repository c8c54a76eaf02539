#pragma once

// The line of a test that calls a function of a fixture, for its failures. In place of
// SourceLine, which clang 14 does not support.
struct SourceLine {
    const char *file;
    int line;

    // To be the value of a default argument: then it is the line of the call.
    static SourceLine current(const char *file = __builtin_FILE(), int line = __builtin_LINE())
    {
        return {file, line};
    }
};
