"""Pictures that notebooks show, as arrays of NumPy's. Imported where one is made."""

from __future__ import annotations

from ._arrays import numpy_here
from ._picture import png_of

TYPE_CHECKING = False
if TYPE_CHECKING:
    from typing import Any, Optional

    import numpy as np

    _Base = np.ndarray[Any, np.dtype[np.uint8]]
else:
    _Base = getattr(numpy_here(), "ndarray", object)


class Image(_Base):
    """An array of pixels that a notebook shows as a picture; an `ndarray` in all else."""

    def _repr_png_(self) -> Optional[bytes]:
        if self.dtype != "uint8" or self.ndim != 3 or self.shape[2] not in (3, 4) or not self.size:
            return None
        return png_of(self)
