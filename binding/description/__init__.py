"""What follows from the interface files: stubs, and the list of functions for tests."""
