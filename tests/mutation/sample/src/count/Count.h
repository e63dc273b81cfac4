#pragma once

/// Number of digits of a positive number.
int Digits(int number);
