// Has the header compiled that every source of a game module begins with. Nothing of it is linked.
