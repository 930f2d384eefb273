#pragma once

namespace orvex {

class ByteWindow;
struct Lib3dsFault;

/// Whether lib3ds can be given these bytes as a 3DS file.
///
/// lib3ds trusts what it reads: a chunk of size zero keeps it busy for ever, a count or a text that
/// is longer than its chunk writes past its buffers, a node with an unknown parent makes it follow
/// null. So the whole tree of chunks is walked before it sees the file, with its own understanding
/// of it: sizes lie within the parent's, counts fit their chunks, texts end in time, faces name
/// vertices that are there, nodes hang together as a tree, and what all of it would cost in memory
/// and time has a bound.
///
/// Reads each byte twice at most, keeps some megabytes at most, and stops at the first fault.
/// @param[out] fault  that fault; null where nobody asks
bool lib3ds_can_read(ByteWindow& bytes, Lib3dsFault* fault = nullptr);

} // namespace orvex
