// A shared library needs one source of its own; its content comes from whole static modules.
