"""Whole programs on a desk: a screen, a Wine prefix, the programs on them, and what they have written down."""
