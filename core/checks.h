#pragma once

// Appends the quiet moves (castling included, promotions not) of the side to move that give check,
// pseudo-legal and scored by the history counter of set `wide`. With `wide` 0 a direct check is appended only
// if IsSafeMove holds for it, a discovered one always; with `wide` 1 all are appended. Returns how many
// checking moves there are, appended or not. The opponent must not be in check already.
int GenerateQuietChecks(int wide);
