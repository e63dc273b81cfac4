"""A second, independent computation of everything that one run of the evaluation writes.

It shares no code with the program. Sums run left to right over the short axis (corners, neighbours,
samples) and are vectorised over nodes, so that results can be compared bit for bit.
All node, face and cell arrays are 1-based: entry 0 exists and is not used.
"""
