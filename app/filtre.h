#pragma once

class BaseBuffer;

/// Hides every attribute of the schema from the writers, one by one. It is the complete list: a run
/// that wants to keep some attributes takes their lines out. Values and columns stay.
void filtre(BaseBuffer& table);
