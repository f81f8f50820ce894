// Has the header compiled that every source of the host begins with. Nothing of it is linked.
