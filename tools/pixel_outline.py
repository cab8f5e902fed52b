"""Turns a set of square cells into the contours of a TrueType outline."""


def contours(cells):
    """Returns closed polygons around cells, as lists of corner points in cells.

    Filled cells lie to the right of every edge, so outer contours run clockwise
    and holes counter-clockwise, as TrueType wants. Neighbouring cells share one
    contour without a seam; cells that touch at a corner only keep contours of
    their own. Points are given where the contour turns and nowhere else. The
    same cells always give the same contours in the same order.
    """
    edges = _border_edges(cells)
    result = []
    while edges:
        result.append(_corners(_take_loop(edges, min(edges))))
    return result


def _border_edges(cells):
    """Returns {start point: list of end points} of all edges of the border."""
    edges = {}

    def add(start, end):
        edges.setdefault(start, []).append(end)

    for x, y in cells:
        if (x, y + 1) not in cells:
            add((x, y + 1), (x + 1, y + 1))
        if (x + 1, y) not in cells:
            add((x + 1, y + 1), (x + 1, y))
        if (x, y - 1) not in cells:
            add((x + 1, y), (x, y))
        if (x - 1, y) not in cells:
            add((x, y), (x, y + 1))
    return edges


def _take_loop(edges, start):
    """Walks along the border from start back to start, removing the edges walked.

    start must be the leftmost point of edges: only one edge leaves it.
    """
    points = [start]
    direction = None
    while True:
        here = points[-1]
        end = _next_point(here, edges[here], direction)
        edges[here].remove(end)
        if not edges[here]:
            del edges[here]
        if end == start:
            return points
        direction = (end[0] - here[0], end[1] - here[1])
        points.append(end)


def _next_point(here, ends, direction):
    """Where two cells touch at a corner, turns right to stay at the same cell."""
    if len(ends) == 1:
        return ends[0]
    dx, dy = direction
    return (here[0] + dy, here[1] - dx)


def _corners(points):
    """Drops the points at which a closed contour goes straight on."""
    count = len(points)
    corners = []
    for i, (x, y) in enumerate(points):
        before, after = points[i - 1], points[(i + 1) % count]
        if (x - before[0], y - before[1]) != (after[0] - x, after[1] - y):
            corners.append((x, y))
    return corners
