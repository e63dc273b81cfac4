#pragma once

namespace qnl {

/// Lets idle threads of the parallel runtime sleep instead of spin, unless the environment says how they are
/// to wait (OMP_WAIT_POLICY, GOMP_SPINCOUNT): spinning costs a busy machine many times the work itself. The
/// runtime reads the environment when the program starts, so the program starts itself anew, once and as the
/// same process. To be called before there is any work, and not when there will be none, with the words of
/// the command line. Where it cannot be done nothing happens.
void LetIdleThreadsSleep(char** argv);

}  // namespace qnl
