#pragma once

// Answering from endgame tables instead of searching.

// Orders the root list by what tables and rules know of its moves, and sets every RootScore to it, when that
// is known of all of them; reports the best. No iteration is due then: it could only ask the tables the same
// again, and would take a position that has occurred once before for a draw. Not for a mate search. The root
// must have been prepared.
bool AnswerFromTables();
