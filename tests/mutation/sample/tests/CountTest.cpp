#include "count/Count.h"

int main() {
    return Digits(7) == 1 && Digits(123) == 3 ? 0 : 1;
}
