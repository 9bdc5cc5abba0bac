#pragma once

// Appends the quiet moves (castling included, promotions not) of the side to move that give check,
// pseudo-legal and scored by the history counter of set `selector`. A direct check is appended only if
// IsSafeMove holds for it, a discovered one always. Returns how many there are. The opponent must not be in
// check already.
int GenerateQuietChecks(int selector);
