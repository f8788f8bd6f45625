# VELLUM_ARCH: the instruction set that everything is compiled for. Left alone it is x86-64-v3 where this machine
# runs that, else x86-64; on other processors it is empty, and the compiler's default counts.
include(CheckCXXSourceRuns)

if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$")
  check_cxx_source_runs(
    "int main() {
       __builtin_cpu_init();
       return __builtin_cpu_supports(\"avx2\") && __builtin_cpu_supports(\"fma\") && __builtin_cpu_supports(\"bmi\")
              && __builtin_cpu_supports(\"bmi2\") ? 0 : 1;
     }"
    VELLUM_MACHINE_RUNS_V3)
  if(VELLUM_MACHINE_RUNS_V3)
    set(VELLUM_ARCH_DEFAULT x86-64-v3)
  else()
    set(VELLUM_ARCH_DEFAULT x86-64)
  endif()
else()
  set(VELLUM_ARCH_DEFAULT "")
endif()
set(VELLUM_ARCH "${VELLUM_ARCH_DEFAULT}" CACHE STRING "Instruction set to compile for, as -march takes it")
