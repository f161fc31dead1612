"""What the plugin did to a whole program, from the records of its compilation."""
