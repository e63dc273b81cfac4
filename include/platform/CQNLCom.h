#pragma once

/// Process environment and clock.
class CQNLCom {
public:
    /// Initialises the environment from the process arguments. The two outputs receive the rank and the
    /// number of processes: 0 and 1 here, as the program is one process. Gives 1.
    int Init(bool start, int& rank, int& processes, int argc, char** argv, int mode);

    /// Monotonic wall-clock time, s.
    double Time() const;
};
