"""Variables as objects of other packages, each of which is imported where it is used."""
