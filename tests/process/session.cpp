#include "tests/process/session.h"

#include <gtest/gtest.h>

#include <algorithm>

const char* const ENGINE_PATH = KESTROVAN_ENGINE;

Session::Session() : Engine(ENGINE_PATH) {
    Ask("");
}

Session::Session(const std::string& settings) : Engine(ENGINE_PATH, settings) {
    Ask("");
}

std::string Session::BestMove(const std::string& lines) {
    constexpr size_t MOVE_START = 9;  // behind "bestmove "
    Send(lines);
    const std::string answer = ReadUntil("bestmove ").back();
    return answer.substr(MOVE_START, answer.find(' ', MOVE_START) - MOVE_START);
}

std::string StartUpOutput() {
    Engine engine(ENGINE_PATH);
    std::string output = engine.ReadToEnd();
    EXPECT_EQ(engine.WaitForExit(), 0);
    return output;
}

std::string Transcript(const std::string& input) {
    static const std::string startUp = StartUpOutput();
    Engine engine(ENGINE_PATH);
    engine.SendBytes(input);
    const std::string output = engine.ReadToEnd();
    EXPECT_EQ(engine.WaitForExit(), 0) << input.substr(0, 200);
    EXPECT_TRUE(output.starts_with(startUp)) << output;
    return output.substr(std::min(startUp.size(), output.size()));
}

bool HasLine(const std::vector<std::string>& lines, const std::string& prefix) {
    return std::any_of(lines.begin(), lines.end(),
                       [&](const std::string& line) { return line.starts_with(prefix); });
}

std::string Join(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    return text;
}
