"""Turns the facts of an engine interface version into C structs, C++ classes and the glue between them."""
