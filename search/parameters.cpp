#include "search/parameters.h"

#include <algorithm>
#include <cstring>

#define PARAMETER(name, value, least, greatest, meaning) \
    static_assert((least) <= (value) && (value) <= (greatest), #name);
#include "search/parameterlist.inc"
#undef PARAMETER

#ifdef KESTROVAN_TRIALS

#define PARAMETER(name, value, least, greatest, meaning) int name = value;
#include "search/parameterlist.inc"
#undef PARAMETER

std::span<const ParameterRow> SettableParameters() {
#define PARAMETER(name, value, least, greatest, meaning) {#name, &name, least, greatest},
    static constexpr ParameterRow Rows[] = {
#include "search/parameterlist.inc"
    };
#undef PARAMETER
    return Rows;
}

#else

std::span<const ParameterRow> SettableParameters() {
    return {};
}

#endif

bool SetParameter(const char* name, int value) {
    for (const ParameterRow& row : SettableParameters()) {
        if (std::strcmp(row.Name, name) != 0) continue;
        *row.Value = std::clamp(value, row.Least, row.Greatest);
        return true;
    }
    return false;
}
