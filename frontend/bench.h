#pragma once

// The depth of every search of "bench", in plies, as "sd" counts them.
constexpr int BENCH_DEPTH = 9;

// Searches the positions of benchpositions.h, each to BENCH_DEPTH with empty tables, and prints the nodes of
// each, the counts of the search where they are kept, and the sum of nodes with the time they took. The sum
// follows from search, evaluation and weights alone: table sizes, personality, limits and dialect have fixed
// values meanwhile and come back afterwards, as does the game. What searches have learnt is forgotten, as by
// "clean". Input that ends a search ends the whole, without a sum.
void RunBench();
