#include "tests/process/session.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

std::string EnginePath() {
    const char* other = std::getenv("KESTROVAN_ENGINE");
    return other != nullptr ? other : KESTROVAN_ENGINE;
}

Session::Session(const std::string& settings) : Engine(EnginePath(), settings) {
    Ask("");
}

std::string Session::BestMove(const std::string& lines) {
    constexpr size_t MOVE_START = 9;  // behind "bestmove "
    Send(lines);
    const std::string answer = ReadUntil("bestmove ").back();
    return answer.substr(MOVE_START, answer.find(' ', MOVE_START) - MOVE_START);
}

std::string WholeOutput(const std::string& input, const std::string& settings) {
    Engine engine(EnginePath(), settings);
    engine.SendBytes(input);
    std::string output = engine.ReadToEnd();
    EXPECT_EQ(engine.WaitForExit(), 0) << settings << input.substr(0, 200);
    return output;
}

std::string Transcript(const std::string& input) {
    static const std::string startUp = WholeOutput("");
    const std::string output = WholeOutput(input);
    EXPECT_TRUE(output.starts_with(startUp)) << output;
    return output.substr(std::min(startUp.size(), output.size()));
}

bool HasLine(const std::vector<std::string>& lines, const std::string& prefix) {
    return Join(lines).starts_with(prefix) || Join(lines).find("\n" + prefix) != std::string::npos;
}

std::string Join(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    return text;
}
