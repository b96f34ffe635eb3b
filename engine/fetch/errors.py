"""The one kind of failure that the engine fetcher reports to its user."""


class FetchError(Exception):
    """Carries one finished sentence for the user; whoever catches it prints it and adds nothing."""
