#pragma once

#include "core/material.h"

// What the counts of men alone decide, for every signature of core/material.h.
struct MaterialEntry {
    uint8_t Flags[2];  // by side: MATERIAL_CANNOT_WIN, MATERIAL_ENDING
    int16_t current_phase;
    int16_t black_phase;
    int16_t white_phase;
    int16_t Imbalance;  // centipawns, Black-positive, without the plain difference of Material
};
static_assert(sizeof(MaterialEntry) == 10);

constexpr int PHASE_LIMIT = 256;  // bare kings

constexpr int MATERIAL_CANNOT_WIN = 1;  // no pawns, and pieces that mate nobody
constexpr int MATERIAL_ENDING = 2;      // the side's king needs no shelter any more

extern MaterialEntry MaterialTable[SIGNATURE_COUNT];

// Fills MaterialTable from the weights; due whenever one has changed. Half a million entries take their time:
// nothing is done when those that matter are the same.
void FillMaterialTable();

// The material of the position: from the table, or by the same rules from the counts when the signature is
// out of range.
MaterialEntry CurrentMaterial();
