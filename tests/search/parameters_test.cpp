#include "search/parameters.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <utility>

namespace {

// What a build for trials lists; other builds have no table.
TEST(ParametersTest, AreSetByTheirWholeNameWithinTheirRange) {
    ASSERT_FALSE(SettableParameters().empty());
    for (const ParameterRow& row : SettableParameters()) {
        SCOPED_TRACE(row.Name);
        const int standard = *row.Value;
        EXPECT_TRUE(row.Least <= standard && standard <= row.Greatest && row.Least < row.Greatest);
        EXPECT_FALSE(SetParameter(std::string(row.Name, std::strlen(row.Name) - 1).c_str(), row.Least));
        EXPECT_FALSE(SetParameter((row.Name + std::string("s")).c_str(), row.Least));
        EXPECT_EQ(*row.Value, standard);
        for (const auto& [wanted, got] :
             {std::pair{row.Greatest + 1, row.Greatest}, {row.Least - 1, row.Least}, {standard, standard}}) {
            EXPECT_TRUE(SetParameter(row.Name, wanted));
            EXPECT_EQ(*row.Value, got);
        }
    }
}

}  // namespace
