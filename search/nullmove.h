#pragma once

#include "search/node.h"

// The null move: whether the side to move could pass and still be at beta or better.

// Whether passing is worth a try at this node.
bool MayTryNull(const Node& node);

// Passes, and searches what follows deeper and deeper up to the depth that the node's depth allows, as long
// as the result holds. Returns the last result from the side to move's view; it means nothing once
// StopRequested is set. Sets the node's MateThreat.
int TryNull(Node& node);
