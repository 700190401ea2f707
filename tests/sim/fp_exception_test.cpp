// Exceptions between instructions of the FPU: which frame is made, when the context is saved, and what refuses it.

#include "tests/sim/exception_board.h"

namespace sim_test {

namespace {

#include "tests/sim/firmware/fp_exceptions.inc"

constexpr IMAGE_LABELS FP_IMAGE = {IMAGE, sizeof(IMAGE), L_done};

constexpr U32 ONE = 0x3F800000;
constexpr U32 TWO = 0x40000000;
constexpr U32 NOT_WRITTEN = 0x5A5A5A5A;
constexpr U32 FRAME_S0 = 0x20000FB8;
constexpr U32 NOCP = 1u << 19;
constexpr U32 LSPERR = 1u << 13;

const EXCEPTION_CASE CASES[] = {
    {"LazyUnused", L_lazy_unused, "+11 -11", {0xC0000079, FRAME_S0, NOT_WRITTEN, ONE}},
    {"LazySaved", L_lazy_saved, "+11 -11", {0xC0000078, ONE, 0x80000000, ONE}},
    {"Eager", L_eager, "+11 -11", {0x80000000, ONE, 0xFFFFFFE9, ONE}},
    {"NoAutomaticContext", L_no_automatic_context, "+11 -11", {0xFFFFFFF9, TWO, 0}},
    {"Nested", L_nested, "+16 +17 -17 -16", {0xFFFFFFE9, ONE, 0xC0000078, ONE}},
    {"NestedContexts", L_nested_contexts, "+16 +17 -17 -16", {0xFFFFFFE1, ONE, TWO, ONE}},
    {"TailChained", L_tail_chained, "+16 -16 +17 -17", {0xFFFFFFE9, 0, 0, ONE}},
    {"OnPsp", L_on_psp, "+11 -11", {0xFFFFFFED, 0x20000F04, 6, 0x20000EB8}},
    {"DefaultModes", L_default_modes, "+11 -11", {0x47C00001, 0x40000001}},
    {"NoAccess", L_no_access, "+6 -6", {}, NOCP},
    {"NoAccessUnprivileged", L_no_access_unprivileged, "+6 -6 +11 -11", {ONE}, NOCP},
    {"UnknownInstruction", L_unknown_instruction, "+6 -6", {}, 0x00010000},
    {"UnknownWithoutAccess", L_unknown_without_access, "+6 -6", {}, NOCP},
    {"SaveFails", L_save_fails, "+11 +5 -5 -11", {0xC0000079, 0, 0, ONE}, LSPERR},
    {"SaveFailsNotReady", L_save_fails_not_ready, "+11 +3 -3 -11", {0xC0000019, 0, 0, ONE}, LSPERR, FORCED},
    {"RestoreRefused", L_restore_refused, "+11 -11 +6 -6", {0, 0, 0, ONE}, NOCP},
    {"EagerRefused", L_eager_refused, "+6 -6 +11 -11", {}, NOCP},
    {"Unaligned", L_unaligned, "+6 -6", {}, 0x01000000},
    {"BusRead", L_bus_read, "+5 -5", {0x60000000, ONE}, 0x00008200},
};

TEST(CFpException, RunAndStepped) {
  ExpectAll(FP_IMAGE, sim::FPU::V4_SINGLE, CASES);
}

}  // namespace

}  // namespace sim_test
