// Nothing: the yardstick of loading a library.
