#include "frontend/startup.h"

int main() {
    StartUp();
    RunCommandLoop();
}
