#include "cli/program.h"

int main(int argc, char** argv) {
  return tarnby::cli::run_program(argc, argv);
}
