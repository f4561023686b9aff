// The tests of a sanitized test program have been compiled elsewhere; a program must have a source of its own.
