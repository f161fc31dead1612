"""Plan files: what they say, several as one, and what is wrong with them."""
