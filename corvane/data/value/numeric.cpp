#include "corvane/data/value/numeric.h"

numeric::~numeric() = default;
