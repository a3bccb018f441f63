// The program's own main(), under another name, so that a test can run it whole.
#define main velmoraMain
#include "core/main.cpp"
