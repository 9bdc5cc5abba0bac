#pragma once

// Appends the replies of a side to move that is in check, each scored by ScoreEvasion. They are legal, except
// that an en-passant capture may uncover a slider; the caller tests that after making it.
void GenerateEvasions();
