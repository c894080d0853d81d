"""What goes wrong, as exceptions."""


class Error(Exception):
    """An effect failed: `words` say why and what would help, `status` is the library's."""

    def __init__(self, words, status=0):
        super().__init__(words, status)
        self.words = words
        self.status = status

    def __str__(self):
        return self.words


class Cancelled(Error):
    """The progress function returned False."""


class ValueRefused(Error, ValueError):
    """An effect does not take this value, or not for this picture."""


class FileError(Error, OSError):
    """A file cannot be read or written."""

    def __init__(self, words, status=0):
        OSError.__init__(self, words)
        self.words = words
        self.status = status

    __str__ = Error.__str__
