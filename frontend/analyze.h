#pragma once

// Analyze mode: searches the position until input changes it or ends the mode, again and again. Returns after
// "exit" or the end of input.
void RunAnalyze();
