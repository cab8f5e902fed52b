# The folders of the game, floor by floor from the ground up. Each needs only those before it; the two on the ground
# need each other neither. Whatever goes over the game's sources takes its folders from here, and
# tools/check_floors.py sees to it that nothing runs upwards.
set(ground core net)
set(floors ${ground} media fight lan screens app)
