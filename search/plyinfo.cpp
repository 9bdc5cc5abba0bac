#include "search/plyinfo.h"

PlyRecord PlyInfo[PLY_RECORDS];
int Ply = 0;
