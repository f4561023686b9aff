"""What the modules of the schemes share: a scheme is SOUNDS, one function a sound under the name of its file."""


def scheme():
    """An empty SOUNDS, and the decorator that puts a function into it."""
    sounds = {}

    def sound(name):
        def keep(function):
            sounds[name] = function
            return function
        return keep
    return sounds, sound
