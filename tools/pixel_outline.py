"""Turns a set of square cells into the contours of a TrueType outline."""


def contours(cells):
    """Returns closed polygons around cells, as lists of corner points in cells.

    Filled cells lie to the right of every edge, so outer contours run clockwise and holes counter-clockwise, as
    TrueType wants. Neighbouring cells share one contour without a seam; cells that touch at a corner only keep
    contours of their own. Points are given where the contour turns and nowhere else. The same cells always give
    the same contours in the same order.
    """
    edges = {(point, step) for x, y in cells for neighbour, point, step in (
        ((x - 1, y), (x, y), (0, 1)),
        ((x, y + 1), (x, y + 1), (1, 0)),
        ((x + 1, y), (x + 1, y + 1), (0, -1)),
        ((x, y - 1), (x + 1, y), (-1, 0))) if neighbour not in cells}
    result = []
    while edges:
        result.append(_take_contour(edges))
    return result


def _take_contour(edges):
    """Walks from the leftmost point, which only one edge leaves, back to it, and removes the edges walked."""
    (x, y), (dx, dy) = min(edges)
    corners = [(x, y)]
    while True:
        edges.remove(((x, y), (dx, dy)))
        x, y = x + dx, y + dy
        # Where two cells touch at a corner, a turn to the right stays at the same cell.
        turns = [step for step in ((dy, -dx), (dx, dy), (-dy, dx)) if ((x, y), step) in edges]
        if not turns:
            return corners
        if turns[0] != (dx, dy):
            corners.append((x, y))
        dx, dy = turns[0]
