#include "frame/Programm.h"

int main(int argc, char** argv) { return kivMain(argc, argv); }
