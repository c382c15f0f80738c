"""Runs for tests: their files, written byte by byte, and what is to be read from them."""
