#include "core/exchange.h"

#include "core/fen.h"
#include "core/movetext.h"
#include "tests/support/datafile.h"
#include "tests/support/walker.h"

namespace {

using ExchangeTest = CoreTest;

TEST_F(ExchangeTest, AgreesWithWorkedExamples) {
    int examples = 0;
    for (const DataRow& row : ReadDataRows("exchanges.txt")) {
        LoadFEN(row.Fen.c_str());
        for (const std::string key : {"safe", "unsafe"}) {
            for (const std::string& text : row.Values(key)) {
                EXPECT_EQ(IsSafeMove(TextToMove(text.c_str())), key == "safe") << row.Fen << ' ' << text;
                ++examples;
            }
        }
    }
    EXPECT_GT(examples, 400);
}

}  // namespace
