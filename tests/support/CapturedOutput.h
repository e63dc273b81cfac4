#pragma once

#include <iostream>
#include <sstream>
#include <string>

/// What the program prints on standard output during the life of the object.
class CapturedOutput {
public:
    CapturedOutput() : old_(std::cout.rdbuf(text_.rdbuf())) {}
    ~CapturedOutput() { std::cout.rdbuf(old_); }
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;
    std::string Text() const { return text_.str(); }

private:
    std::ostringstream text_;
    std::streambuf* old_;
};
