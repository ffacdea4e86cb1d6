// Gives the precompiled header its target.
