#include "host/vellumcast.h"

int main(int argc, char** argv) { return vellumcaster::RunVellumcast(argc, argv); }
