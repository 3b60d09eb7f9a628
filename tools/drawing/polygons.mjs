// Flat convex polygons as a viewer sees them: X right, Y up, Z towards the viewer, without perspective. A polygon is
// { points, normal, colour }, its points anticlockwise around its normal.
const closeness = 1e-5; // metres: nearer than this is the same place

const minus = (a, b) => [a[0] - b[0], a[1] - b[1], a[2] - b[2]];
const cross = (a, b) => [a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]];
export const dot = (a, b) => a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
const same = (a, b) => a.every((each, i) => Math.abs(each - b[i]) < closeness);

// The unit normal of three corners; nothing where they stand in a line.
export function normalOf([a, b, c]) {
  const normal = cross(minus(b, a), minus(c, a));
  const length = Math.hypot(...normal);
  return length > closeness ** 2 ? normal.map((each) => each / length) : undefined;
}

// ---- fewer and larger polygons ----------------------------------------------------------------------------------

// How far a corner turns to the left, seen against the normal: 0 where it lies in a line, negative where it is hollow.
function turnAt(points, i, normal) {
  const [before, at, after] = [points.at(i - 1), points[i], points[(i + 1) % points.length]];
  return dot(cross(minus(at, before), minus(after, at)), normal);
}

// Two polygons in one plane that share an edge, as one, if that has no hollow corner.
function join(a, b) {
  if (a.colour !== b.colour || !same(a.normal, b.normal)) {
    return undefined;
  }
  for (let i = 0; i < a.points.length; i++) {
    const next = (i + 1) % a.points.length;
    const j = b.points.findIndex((point) => same(point, a.points[next]));
    const after = (j + 1) % b.points.length;
    if (j >= 0 && same(b.points[after], a.points[i])) {
      const rest = [...b.points.slice(after), ...b.points.slice(0, after)].slice(1, -1);
      const all = [...a.points.slice(next), ...a.points.slice(0, next), ...rest];
      const turns = all.map((_, k) => turnAt(all, k, a.normal));
      const points = all.filter((_, k) => turns[k] > closeness ** 2);
      return turns.every((turn) => turn > -(closeness ** 2)) ? { ...a, points } : undefined;
    }
  }
  return undefined;
}

export function merge(polygons) {
  const merged = [];
  for (let polygon of polygons) {
    for (let i = 0; i < merged.length; i++) {
      const joined = join(merged[i], polygon);
      if (joined) {
        merged.splice(i, 1);
        polygon = joined;
        i = -1; // the larger one may fit to those that were passed
      }
    }
    merged.push(polygon);
  }
  return merged;
}

// ---- what hides what --------------------------------------------------------------------------------------------

const heightsAbove = (plane, points) => points.map((point) => dot(plane.normal, minus(point, plane.points[0])));

// The part of a polygon where the sign times the height is positive. `heights` are those of its points.
function clip(polygon, heights, sign) {
  const points = polygon.points.flatMap((point, i) => {
    const next = (i + 1) % heights.length;
    const part = heights[i] / (heights[i] - heights[next]);
    const crossing = point.map((each, k) => each + part * (polygon.points[next][k] - each));
    const isOff = (k) => Math.abs(heights[k]) > closeness;
    const isCrossed = heights[i] * heights[next] < 0 && isOff(i) && isOff(next);
    return [...(sign * heights[i] > -closeness ? [point] : []), ...(isCrossed ? [crossing] : [])];
  });
  return { ...polygon, points };
}

// Sorts the polygons to the two sides of one's plane; those across it are cut.
function divide(plane, polygons) {
  const sides = { behind: [], within: [], before: [], cuts: 0 };
  for (const polygon of polygons) {
    const heights = heightsAbove(plane, polygon.points);
    const [low, high] = [Math.min(...heights) < -closeness, Math.max(...heights) > closeness];
    if (low && high) {
      sides.behind.push(clip(polygon, heights, -1));
      sides.before.push(clip(polygon, heights, 1));
      sides.cuts++;
    } else {
      sides[low ? 'behind' : high ? 'before' : 'within'].push(polygon);
    }
  }
  return sides;
}

// In the order in which a painter puts them on. All must face the viewer: then what lies before one's plane never lies
// under it, and no order is wrong, even where objects pass through each other.
export function sortBackToFront(polygons) {
  if (polygons.length < 2) {
    return polygons;
  }
  const candidates = 24; // trying some planes is enough to find one that cuts little
  const step = Math.ceil(polygons.length / candidates);
  const divisions = polygons.filter((_, i) => i % step === 0).map((plane) => divide(plane, polygons));
  const balance = ({ behind, before, cuts }) => 8 * cuts + Math.abs(behind.length - before.length);
  const best = divisions.reduce((a, b) => (balance(b) < balance(a) ? b : a));
  return [...sortBackToFront(best.behind), ...best.within, ...sortBackToFront(best.before)];
}

function* cellsOf(points, cell) {
  const [columns, rows] = [0, 1].map((i) => points.map((point) => Math.floor(point[i] / cell)));
  const isInside = (x, y) => points.every((a, i) => {
    const b = points[(i + 1) % points.length];
    return (b[0] - a[0]) * (y - a[1]) >= (b[1] - a[1]) * (x - a[0]);
  });
  for (let column = Math.min(...columns); column <= Math.max(...columns); column++) {
    for (let row = Math.min(...rows); row <= Math.max(...rows); row++) {
      if (isInside((column + 0.5) * cell, (row + 0.5) * cell)) {
        yield `${column} ${row}`;
      }
    }
  }
}

// Those of polygons in a painter's order that show in the middle of a cell at least: more than half of all are covered.
export function keepSeen(polygons, cell) {
  const seen = new Map();
  for (const polygon of polygons) {
    for (const at of cellsOf(polygon.points, cell)) {
      seen.set(at, polygon);
    }
  }
  const kept = new Set(seen.values());
  return polygons.filter((polygon) => kept.has(polygon));
}
