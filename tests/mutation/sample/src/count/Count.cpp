#include "count/Count.h"

int Digits(int number) {
    int digits = 0;
    while (number > 0) {
        number /= 10;
        ++digits;
    }
    return digits;
}
