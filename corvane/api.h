#ifndef CORVANE_API_H
#define CORVANE_API_H

/// Marks what leaves the shared library; everything else is compiled with hidden visibility.
#define CORVANE_API __attribute__((visibility("default")))

#endif
