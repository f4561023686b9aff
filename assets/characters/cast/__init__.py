"""The characters, by their names: CAST["Brindle"] is the class."""

from cast.brindle import Brindle
from cast.clatterby import Clatterby
from cast.ottoline import Ottoline
from cast.plonk import Plonk
from cast.tansy import Tansy
from cast.tremolina import Tremolina

CAST = {character.name: character for character in (Brindle, Clatterby, Ottoline, Plonk, Tansy, Tremolina)}
