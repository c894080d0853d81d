// The words of a command line before they are understood.
#ifndef QV8_CHAINS_WORDS_H
#define QV8_CHAINS_WORDS_H

#include <string>
#include <vector>

using Words = std::vector<std::string>;

// Throws a Failure that says where an empty word stands: such as a variable of a script that was never set makes. It
// would be as good as no word, and the effect another one.
void RefuseEmptyWords(const Words& words);

// Joins the points behind an option that takes several into one word, so that it is told from what follows, and gives
// numbers such as -.5 their zero, so that they are not taken for options. Behind "--" there are names only, which stay.
Words Prepared(const Words& words);

// The words of each step of a chain, which "|" keeps apart as in a command line of a shell. Quotes of both kinds hold
// words together. Throws a Failure when one is not closed.
std::vector<Words> StepsOf(const std::string& chain);

#endif
