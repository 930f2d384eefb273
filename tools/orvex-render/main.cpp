// Renders a model file to a picture, and tells what a model or a graphics context holds.

#include "program.h"

int main(int argc, char** argv) {
    return run_program({argv + 1, argv + argc});
}
