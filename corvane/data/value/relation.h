#ifndef CORVANE_DATA_VALUE_RELATION_H
#define CORVANE_DATA_VALUE_RELATION_H

namespace corvane {

/// The six comparisons of a condition.
enum class Relation { kEqual, kNotEqual, kGreater, kLess, kGreaterEqual, kLessEqual };

}  // namespace corvane

#endif
