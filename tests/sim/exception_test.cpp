// Exceptions as firmware meets them: order of handlers, what is stacked, fault status registers.

#include "tests/sim/exception_board.h"

namespace sim_test {

namespace {

#include "tests/sim/firmware/exceptions.inc"

using sim::STOP;

constexpr IMAGE_LABELS CORE_IMAGE = {IMAGE, sizeof(IMAGE), L_done};

const EXCEPTION_CASE ROWS[] = {
    {"SvcOnPsp", L_svc_on_psp, "+11 -11", {42, 0x60000000, 0x20000F04, 0x61000200}},
    {"TailChain", L_tail_chain, "+16 -16 +17 -17"},
    {"BasepriHoldsBack", L_basepri_holds_back, "+17 -17 -110 +16 -16", {0x40}},
    {"PendsvAfterSvc", L_pendsv_after_svc, "+11 -11 +14 -14"},
    {"NmiThroughFaultmask", L_nmi_through_faultmask, "+2 -2 +16 -16"},
    {"Undefined", L_undefined, "+6 -6", {}, 0x00010000},
    {"UndefinedDisabled", L_undefined_disabled, "+3 -3", {}, 0x00010000, FORCED},
    {"NoCoprocessor", L_no_coprocessor, "+6 -6", {}, 0x00080000},
    {"FaultInFault", L_fault_in_fault, "+6 +3 -3 -6", {}, 0x00010000, FORCED},
    {"Lockup", L_lockup, "+3", {}, 0x00010000, FORCED, STOP::LOCKUP},
    {"SvcMasked", L_svc_masked, "+3 -3", {0xFFFFFFF9}, 0, FORCED},
    {"BusRead", L_bus_read, "+5 -5", {}, 0x00008200},
    {"BusWriteFlash", L_bus_write_flash, "+5 -5", {}, 0x00008200},
    {"BusWriteBuffered", L_bus_write_buffered, "+5 -5", {0x42}, 0x00000400},
    {"BusWriteDisabled", L_bus_write_disabled, "+3 -3", {}, 0x00000400, FORCED},
    {"BusWriteBack", L_bus_write_back, "+5 -5", {0x60000000}, 0x00008200},
    {"ExecuteNever", L_execute_never, "+4 -4", {}, 0x00000001},
    {"FetchNowhere", L_fetch_nowhere, "+5 -5", {}, 0x00000100},
    {"ArmState", L_arm_state, "+6 -6", {}, 0x00020000},
    {"BadReturn", L_bad_return, "+16 +6 -6", {}, 0x00040000},
    {"UnalignedMultiple", L_unaligned_multiple, "+6 -6", {}, 0x01000000},
    {"UnalignedTrap", L_unaligned_trap, "+6 -6", {}, 0x01000000},
    {"DivideByZero", L_divide_by_zero, "+6 -6", {0}, 0x02000000},
    {"Unprivileged", L_unprivileged, "+5 -5 +11 -11", {0}, 0x00008200},
    {"ExclusiveLost", L_exclusive_lost, "+11 -11", {0, 1}},
    {"StackLost", L_stack_lost, "", {}, 0x00019200, FORCED, STOP::LOCKUP},
    {"UnstackLost", L_unstack_lost, "+11 -11 +5 -5", {}, 0x00000800},
    {"StackLostDerived", L_stack_lost_derived, "+5 -5 +11 -11", {}, 0x00001000},
    {"VectorLost", L_vector_lost, "+3 -3", {0xFFFFFFF9}, 0, 2},
    {"MonitorPended", L_monitor_pended, "+12 -12"},
    {"LateAndLessUrgent", L_late_and_less_urgent, "+18 -18 +17 -17 +15 -15 +16 -16 +14 -14"},
    {"PriorityGroupOfTwo", L_priority_group_of_two, "+16 -16 +17 +18 -18 -17"},
    {"PendByShcsr", L_pend_by_shcsr, "+11 -11 +6 -6", {0x00070080, 0x00071080}},
    {"WfiMasked", L_wfi_masked, ""},
    {"WfeEvents", L_wfe_events, "+11 -11"},
    {"ResetRequest", L_reset_request, "", {3}},
    {"Vtor", L_vtor, "", {77}},
};

TEST(CException, RunAndStepped) {
  ExpectAll(CORE_IMAGE, sim::FPU::NONE, ROWS);
}

TEST(CExceptionDetails, VectorCatchStopsAtTheHandler) {
  // case, bit of DEMCR, exception; 0: another cause than the one to catch
  const std::tuple<U32, U32, U32> aCatch[] = {{L_undefined_disabled, 10, 3}, {L_bus_read, 8, 5},
                                              {L_no_coprocessor, 5, 6},      {L_divide_by_zero, 6, 6},
                                              {L_stack_lost_derived, 9, 5},  {L_undefined, 5, 0}};
  for (const auto& [Label, DemcrBit, Exc] : aCatch) {
    CExceptionBoard Board(CORE_IMAGE, sim::FPU::NONE);
    Board.SetWord(0xE000EDFC, 1u << DemcrBit);
    Board.Select(Label);
    EXPECT_EQ(Board.Run(MANY, nullptr, false), Exc ? STOP::VECTOR_CATCH : STOP::BKPT);
    EXPECT_EQ(Board.Pc(), Exc ? L_handler : L_done);
    EXPECT_TRUE(Label != L_bus_read || Board.Word(BFAR) == 0x60000004);
    EXPECT_EQ(Board.Reg(VNODE_REG_IPSR), Exc);
    EXPECT_EQ(Board.Word(DFSR), Exc ? 8u : 2u) << "vector catch or BKPT";
  }
}

// What ARMv6-M does not know, or does not allow, is a hard fault.
TEST(CExceptionV6, EverythingIsAHardFault) {
  const std::pair<const char*, std::vector<U16>> CODES[] = {
      {"it eq", {0xBF08}},
      {"cbz", {0xB108}},
      {"movw", {0xF240, 0x0001}},
      {"udf", {0xDE00}},
      {"unaligned ldr", {0x2101, 0x0709, 0x3101, 0x6808 | 1 << 3}},
      {"vmov", {0xEE00, 0x0A10}},
  };
  for (auto [sName, aCode] : CODES) {
    SCOPED_TRACE(sName);
    CBoard Board(sim::ARCH::ARMV6M);
    aCode.push_back(0xBE00);
    const U16 BKPT = 0xBE00;
    Board.Load(aCode);
    Board.Program(HANDLER, 2, &BKPT);
    EXPECT_EQ(Board.Run(MANY, nullptr, false), STOP::BKPT);
    EXPECT_EQ(Board.Reg(VNODE_REG_IPSR), 3u);
  }
}

}  // namespace

}  // namespace sim_test
