"""Finds the plans for recursive functions with which one program runs fastest."""
