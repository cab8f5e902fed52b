# The folders of the game, floor by floor from the ground up. Each needs only those before it. Whatever goes over the
# game's sources takes its folders from here, and tools/check_floors.py sees to it that nothing runs upwards.
set(floors core net media fight lan screens app)
