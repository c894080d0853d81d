// How the program ends when something goes wrong: a message for the user and an exit code for the calling script.
#ifndef QV8_PICTURES_FAILURE_H
#define QV8_PICTURES_FAILURE_H

#include <stdexcept>
#include <string>

enum ExitCode {
    kExitOk = 0,
    kExitEffectFailed = 1,
    kExitUsage = 2,
    kExitInput = 3,
    kExitOutput = 4,
    kExitSomeFailed = 5,
    kExitCancelled = 130
};

class Failure : public std::runtime_error {
public:
    Failure(ExitCode code, const std::string& message) : std::runtime_error(message), code_(code) {}

    ExitCode Code() const {
        return code_;
    }

private:
    ExitCode code_;
};

#endif
