"""Pictures of a screen: reading them, and telling where two differ. Needs Pillow."""
from PIL import Image, ImageChops


def read(path):
    """The picture in RGB. Alpha is left out: screens are opaque."""
    with Image.open(path) as image:
        return image.convert("RGB")


def difference(old, new):
    """(picture, count): the new picture darkened, with the pixels that differ in full magenta, and how many there are.

    Pictures of different sizes differ wherever only one of them has a pixel."""
    size = tuple(map(max, old.size, new.size))
    both = (0, 0, *map(min, old.size, new.size))
    red, green, blue = ImageChops.difference(old.crop(both), new.crop(both)).split()
    farthest = ImageChops.lighter(red, ImageChops.lighter(green, blue))
    differs = Image.new("L", size, 255)
    differs.paste(farthest.point(lambda distance: 255 if distance else 0))
    picture = Image.new("RGB", size)
    picture.paste(new.point(lambda value: value // 4))
    picture.paste((255, 0, 255), mask=differs)
    return picture, differs.histogram()[255]
